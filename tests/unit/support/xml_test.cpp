#include "support/xml.h"

#include <gtest/gtest.h>

#include "support/xml_text.h"

namespace {

TEST(XmlReader, BuildsTheTree) {
  struct {
    const char* name;
    const char* text;
    const char* tree;
  } rows[] = {
      {"nothing", "", ""},
      {"white space between elements is no text", "<a>\r\n\t<b/>\r\n</a>\n", "a[b]"},
      {"line ends inside text become line feeds", "<a>1\r\n2\r3\n\r4\n5</a>", "a['1\n2\n3\n4\n5']"},
      {"preserved space, for the children too", "<a xml:space=\"default\">\n<b>\t</b></a>", "a['\n' b['\t']]"},
      {"the case of xml:space", "<a XML:Space=''>\t</a>", "a['\t']"},
      {"attributes by name", "<a z=\"1\" b=\"2\" B=\"3\"/>", "a(B=3 b=2 z=1)"},
      {"the last of a repeated attribute", "<a b='1' b='2'/>", "a(b=2)"},
      {"no quotes", "<a b=1 c=x&amp;y>t</a>", "a(b=1 c=x&y)['t']"},
      {"blanks around the equals sign", "<a b = '1'\tc= 2/>", "a(b=1 c=2)"},
      {"only one blank on either side", "<a b  = '1'/>", "a(b=)"},
      {"a line end inside quotes", "<a b='1\r\n2'/>", "a(b=1\n2)"},
      {"an attribute without a value", "<a b c='1'/>", "a(b= c=1)"},
      {"a quoted name", "<'a b'/>", "a b"},
      {"a declaration", "<?xml version=\"1.0\" encoding='utf-8'?><a/>", "?xml(encoding=utf-8 version=1.0) a"},
      {"a blank before the end of a declaration", "<?xml version='1' ?>", "?xml(?= version=1)"},
      {"a question mark before the end", "<a b='x?'/><a b='x?'></a>", "a(b=x?) a(b=x)"},
      {"a slash inside a tag closes it", "<a / b='1'>x", "a(b=1) 'x'"},
      {"comments", "<!--a--><b><!-- <c> & --- --></b>", "!--['a'] b[!--[' <c> & --- ']]"},
      {"character data", "<![CDATA[<a>&]]]>", "![CDATA[['<a>&]']"},
      {"Japanese names and values", "<設定 名前='値'>文</設定>", "設定(名前=値)['文']"},
      {"invalid UTF-8 as it stands", "<a b='\xFF'>\xC3(\xE3\x81</a>", "a(b=\xFF)['\xC3(\xE3\x81']"},
      {"a blank in the end tag", "<a></a \n>x", "a 'x'"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const ParsedXml parsed(row.text);
    EXPECT_EQ(XmlTree(parsed.document), row.tree);
    EXPECT_STREQ(parsed.error, "");
  }
}

TEST(XmlReader, ReadsReferences) {
  struct {
    const char* reference;
    const char* text;
  } rows[] = {
      {"&amp;&lt;&gt;&quot;&apos;", "&<>\"'"},
      {"&#65;&#x41;&#X41;", "AA&"},
      {"&#x3042;", "あ"},
      {"&#x-3.0_4g2;", "あ"},
      {"&#xD83D;", "\xF0\x9F\x90\x80"},  // Half a pair counts as a pair with nothing.
      {"x&#0;&#x;y", "xy"},
      {"&nbsp;&AMP;&;&#;&#1a;", "&&&&&"},
      {"&1234567890123456789012;", "&"},
  };
  for (const auto& row : rows) {
    const std::string text = std::string("<a b='") + row.reference + "'>" + row.reference + "</a>";
    const ParsedXml parsed(text);
    EXPECT_EQ(XmlTree(parsed.document), std::string("a(b=") + row.text + ")['" + row.text + "']");
    EXPECT_STREQ(parsed.error, "") << row.reference;
  }
}

TEST(XmlReader, NotesTheFirstErrorAndKeepsWhatItRead) {
  const char unfinished[] =
      "アンドマーク（&）で始まる文字列は、セミコロン（;）で終了する必要があります。"
      "'&'を'&amp;'に置き換えるか制御文字列の最後に';'を加えてください。";
  const char unnamed[] = "名前の無い<を間違えて使っています。必要に応じて「<」では無く「&lt;」を使ってください。";
  const char end[] = " Check you have terminated your element properly.";
  const struct {
    std::string text;
    std::string error;
    std::string tree;
  } rows[] = {
      {"<a", "Ln 1, Col 3: <a>タグの終わり山括弧（>）がありません", "a"},
      {"\n\n<a b='1'", "Ln 3, Col 9: <a>タグの終わり山括弧（>）がありません", "a(b=1)"},
      {"<a b='1>\n</a>", "Ln 2, Col 5: <a>タグの終わり山括弧（>）がありません", "a(b=1>\n</a>)"},
      {"<a>\r\n<b>", std::string("Ln 2, Col 4: (EOF) Element <b> should be terminated with </b>.") + end, "a[b]"},
      {"<!--x--", std::string("Ln 1, Col 8: (EOF) Element <!--> should be terminated with </!-->.") + end,
       "!--['x--']"},
      {"<a><b>x</a>y", std::string("Ln 1, Col 12: Element <b> should be terminated with </b>, was with a.") + end,
       "a[b['x'] 'y']"},
      {"<a/>\r\nあ</b><c/>", "Ln 2, Col 8: Misplaced </b> which does not match a <b>.", "a 'あ'"},
      {"<a>1 < 2<b/></a>", std::string("Ln 1, Col 8: ") + unnamed, "a['1 '] '2' b"},
      {"<a>x & y</a>", std::string("Ln 1, Col 8: ") + unfinished, "a['x y']"},
      {"<a>&12345678901234567890123;</a>", std::string("Ln 1, Col 28: ") + unfinished, "a[';']"},
      {"<a>&", std::string("Ln 1, Col 5: ") + unfinished, "a"},
  };
  for (const auto& row : rows) {
    const ParsedXml parsed(row.text);
    EXPECT_EQ(parsed.error, row.error);
    EXPECT_EQ(XmlTree(parsed.document), row.tree) << row.text;
  }
}

TEST(XmlWriter, SavesTheForm) {
  struct {
    const char* name;
    const char* text;
    const char* saved;
  } rows[] = {
      {"one line for a simple element", "<a b='1'>x</a>", "<a b=\"1\">x</a>\n"},
      {"a level deeper by a tab", "<a><b><c/><d>x</d></b></a>", "<a>\n\t<b>\n\t\t<c/>\n\t\t<d>x</d>\n\t</b>\n</a>\n"},
      {"white space is no content", "<a> </a><b xml:space=''>\t\n</b>", "<a/>\n<b/>\n"},
      {"text beside elements is not indented", "<a>x<b/>y</a>", "<a>\nx\t<b/>\ny</a>\n"},
      {"encoded", "<a b='&lt;&gt;&amp;&quot;&apos;'>&lt;&gt;&amp;&quot;'あ</a>",
       "<a b=\"&lt;&gt;&amp;&quot;'\">&lt;&gt;&amp;&quot;'あ</a>\n"},
      {"comments raw", "<a><!-- <&> --></a>", "<a>\n\t<!-- <&> -->\n</a>\n"},
      {"character data raw", "<![CDATA[<&>]]>", "<![CDATA[<&>]]>\n"},
      {"a document type", "<!DOCTYPE a [<b>]>", "<!DOCTYPE a [<b>]>\n"},
      {"the version first", "<?xml a='&amp;' encoding='x' Version='2' version='1'?>",
       "<?xml version=\"1\" a=\"&amp;\" encoding=\"x\"?>\n"},
      {"other instructions by name only", "<?x version='1' a='2'?>", "<?x a=\"2\" version=\"1\"?>\n"},
      {"an empty version is left out", "<?xml version='' a='1'?>", "<?xml a=\"1\"?>\n"},
      {"line ends of text", "<a>1&#13;2&#13;&#10;3&#10;&#13;4&#10;&#10;5</a>", "<a>1\n2\n3\n4\n\n5</a>\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(ParsedXml(row.text).Saved(), row.saved);
    EXPECT_EQ(ParsedXml(row.saved).Saved(), row.saved) << "saved again";
  }
}

TEST(XmlWriter, SavesOneElement) {
  LStringLongTemplate<char> out;
  const ParsedXml parsed("<a><b/>x<c>y</c><!--z--></a>");
  EXPECT_TRUE(parsed.document.children.first->SaveToBuffer(out, -1));
  EXPECT_STREQ(out, "<a><b/>x<c>y</c>\n<!--z--></a>\n") << "nothing is indented below zero";
  out = "";
  LXMLElement data("![cdata[");
  data.children.AddHead(LXMLElement::NewText("x", 1));
  EXPECT_TRUE(data.SaveToBuffer(out, 1));
  EXPECT_STREQ(out, "\t<![cdata[x]]>\n") << "constructed character data is closed in any case";
  out = "";
  const std::unique_ptr<LXMLElement> blank(LXMLElement::NewText(" \t\r\n", 4)), text(LXMLElement::NewText(" x", 2));
  EXPECT_FALSE(blank->SaveToBuffer(out, 3));
  EXPECT_TRUE(text->SaveToBuffer(out, 3));
  EXPECT_STREQ(out, " x");
}

TEST(Xml, NestsWithoutEndAndIndentsOnlySoFar) {
  constexpr size_t kDepth = 200000;
  std::string open, whole;
  for (size_t i = 0; i < kDepth; ++i) open += "<a>";
  whole = open;
  for (size_t i = 0; i < kDepth; ++i) whole += "</a>";
  const ParsedXml parsed(whole);
  EXPECT_STREQ(parsed.error, "");
  LStringLongTemplate<char> out;
  EXPECT_TRUE(parsed.document.children.first->SaveToBuffer(out, -1));
  EXPECT_GT(out.length, kDepth * 7);
  const std::string saved = ParsedXml(open.substr(0, 9000)).Saved();
  EXPECT_NE(saved.find("\n" + std::string(1000, '\t') + "<a>"), std::string::npos);
  EXPECT_EQ(saved.find(std::string(1001, '\t')), std::string::npos);
}

}  // namespace
