// Every operation of the support library that fills a fixed text.
#include "support/boundary_lengths.h"
#include "support/files.h"
#include "support/xml.h"

namespace {

using Text = char[kTextSize];
using std::string;

TEST(FixedTexts, OfCopyingAndFormatting) {
  ExpectCutAtTheArray({
      {"TextCopy", "", "", [](const string& x, Text& out) { TextCopy(out, x.c_str()); }},
      {"TextCopyPart", "", "", [](const string& x, Text& out) { TextCopyPart(out, x.data(), x.size()); }},
      {"TextFormat", "<", ">", [](const string& x, Text& out) { TextFormat(out, "<%s>", x.c_str()); }},
      {"TextAppend", "", "!",
       [](const string& x, Text& out) {
         out[0] = 0;
         TextAppend(out, x.c_str());
         TextAppend(out, "!");
       }},
      {"a fixed writer", "<", ">",
       [](const string& x, Text& out) {
         LFixedLengthStringWriterTemplate<char> writer(out);
         tplwprintf(writer, "<%s>", x.c_str());
         writer.Terminate();
       }},
  });
  char out[8];
  TextCopy(out, "abcdef");
  TextCopy(out, out + 2);
  EXPECT_STREQ(out, "cdef");
  TextCopy(out, nullptr);
  EXPECT_STREQ(out, "");
}

TEST(FixedTexts, OfPaths) {
  const string data = string(getenv("XDG_DATA_HOME")) + "/OrvaneFTP/";
  ExpectCutAtTheArray({
      {"_MakeFilePath, name", "/top/", ".ext",
       [](const string& x, Text& out) { LFile::_MakeFilePath(out, "/top", x.c_str(), ".ext"); }},
      {"_MakeFilePath, extension", "/top/name", "",
       [](const string& x, Text& out) { LFile::_MakeFilePath(out, "/top", "name", x.c_str()); }},
      {"_GetFolderFromPath", "/a", "",
       [](const string& x, Text& out) { LFile::_GetFolderFromPath(out, ("/a" + x + "/y").c_str()); }},
      {"_GetBaseFolderFromPath", "/a", "",
       [](const string& x, Text& out) { LFile::_GetBaseFolderFromPath(out, ("/a" + x + "/y").c_str()); }},
      {"_GetFileFromPath", "", "", [](const string& x, Text& out) { LFile::_GetFileFromPath(out, ("/" + x).c_str()); }},
      {"_GetFileNameFromPath", "a", "",
       [](const string& x, Text& out) { LFile::_GetFileNameFromPath(out, ("/a" + x + ".e").c_str()); }},
      {"_GetFileExtensionFromPath", ".", "",
       [](const string& x, Text& out) { LFile::_GetFileExtensionFromPath(out, ("/a." + x).c_str()); }},
      {"MakeRelativeFolder", "../", "",
       [](const string& x, Text& out) { LFile::MakeRelativeFolder(out, "/q/r", ("/q/" + x).c_str()); }},
      {"MakeUniqueOrderedFilePath", "/none/", ".e",
       [](const string& x, Text& out) { LFile::MakeUniqueOrderedFilePath(out, "/none", x.c_str(), ".e"); }},
      {"GetUserDataFolderAppSubFolder", data, "",
       [](const string& x, Text& out) { LFile::GetUserDataFolderAppSubFolder(x.c_str(), out); }},
  });
}

TEST(FixedTexts, OfXml) {
  ExpectCutAtTheArray({
      {"XMLLoadTag", "a", "",
       [](const string& x, Text& out) {
         Text error = "";
         LXMLLoaderTemplate<char> loader(error);
         loader.text = ("a" + x + ">").c_str();
         EXPECT_EQ(XMLLoadTag(loader, out), '>');
       }},
      {"an error of XML", "Ln 1, Col 1: ", "",
       [](const string& x, Text& out) {
         out[0] = 0;
         LXMLLoaderTemplate<char>(out).SetError("%s", x.c_str());
       }},
  });
}

}  // namespace
