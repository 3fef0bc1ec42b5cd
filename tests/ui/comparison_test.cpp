// Two folders compared through the command of the window.
#include "ui/two_folders_fixture.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class Comparison : public TwoFoldersTest {};

/// Cut, the path of the inner folder would be that of the outer one.
TEST_F(Comparison, AFolderTooDeepForAPathIsNotCompared) {
  const std::string outer(200, 'o'), inner(60, 'i');
  MakeLocal(outer + "/" + inner + "/a.txt", "a");
  MakeRemote(outer + "/" + inner + "/a.txt", "a");
  StartConnected();
  Main().Command(kCommandCompare, 0);
  EXPECT_EQ(PathOf(kRemotePath), "/");
  EXPECT_THAT(Messages(), Contains(HasSubstr("パスが長すぎるためスキップします")));
  ExpectUsable();
}

TEST_F(Comparison, ComparingSelectsWhatIsNewerOrOnlyOnTheServer) {
  MakeBoth("remote-newer.txt", kOld, kNew);
  MakeBoth("local-newer.txt", kNew, kOld);
  MakeBoth("same.txt", kOld, kOld);
  MakeBoth("inside/remote-newer.txt", kOld, kNew);
  MakeBoth("level/same.txt", kOld, kOld);
  MakeRemote("remote-only/x.txt", "r");
  MakeLocal("local-only.txt", "l");
  StartConnected();
  Main().Command(kCommandCompare, 0);
  EXPECT_THAT(Selected(kRemoteList), UnorderedElementsAre("remote-newer.txt", "inside", "remote-only"));
  EXPECT_THAT(Selected(kLocalList), UnorderedElementsAre("local-newer.txt", "local-only.txt"));
  EXPECT_TRUE(IsEnabled(kUploadButton));
  EXPECT_EQ(PathOf(kRemotePath), "/");
  EXPECT_FALSE(Exists(Local("remote-only"))) << "nothing is moved";
  ExpectUsable();
}

}  // namespace
