#include "core/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "stoppable.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

/// Records which waits arrive, too.
class Parent : public RecordingInterface {
 public:
  LProcessResult ProcessWait(unsigned int ms) override { return Waited("wait", ms); }
  LProcessResult ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) override {
    return Waited("signal " + std::to_string(signal.fd), ms);
  }
  LProcessResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) override {
    return Waited("group " + std::to_string(group.count), ms);
  }

  std::vector<std::pair<std::string, unsigned>> waits;

 private:
  LProcessResult Waited(std::string what, unsigned int ms) {
    waits.emplace_back(std::move(what), ms);
    return LProcessResultStopped;
  }
};

void ExpectWaitsReachParent(LProcessInterface& child, Parent& parent) {
  LSignalObjectGroup group;
  EXPECT_TRUE(group.Add(LSignalObjectRef(7)));
  EXPECT_EQ(child.ProcessWait(5), LProcessResultStopped);
  EXPECT_EQ(child.ProcessWaitSignal(LSignalObjectRef(7), 6), LProcessResultStopped);
  EXPECT_EQ(child.ProcessWaitSignalObjectGroup(group, 8), LProcessResultStopped);
  EXPECT_EQ(child.ProcessWaitUntilStopped(), LProcessResultStopped);
  EXPECT_EQ(child.ProcessWaitSignalForever(LSignalObjectRef(7)), LProcessResultStopped);
  EXPECT_EQ(child.ProcessWaitSignalObjectGroupForever(group), LProcessResultStopped);
  EXPECT_THAT(parent.waits,
              ElementsAre(Pair("wait", 5u), Pair("signal 7", 6u), Pair("group 1", 8u), Pair("wait", 4294967295u),
                          Pair("signal 7", 4294967295u), Pair("group 1", 4294967295u)));
}

TEST(Process, SubProcessMapsProgressAndSinksStatus) {
  Parent parent;
  LProcessInterfaceSubProcess child(parent, 0.25, 0.5);
  child.SetProgress(0.5);
  child.SetStatus("action", 0);
  child.SetStatus("item", 1);
  child.SetError("wrong");
  child.SetProgressIndeterminateOn();
  child.SetProgressIndeterminateOff();
  EXPECT_THAT(parent.Progress(), ElementsAre(0.5));
  EXPECT_THAT(parent.Statuses(), ElementsAre(Pair(1, "action"), Pair(2, "item")));
  EXPECT_THAT(parent.Errors(), ElementsAre("wrong"));
  EXPECT_THAT(parent.Indeterminate(), IsEmpty());
  ExpectWaitsReachParent(child, parent);
}

TEST(Process, RecursionKeepsItsStatusLine) {
  Parent parent;
  LProcessInterfaceRecursiveSubProcess outer(parent, 0.5, 0.5);
  LProcessInterfaceRecursiveSubProcess inner(outer, 0.5, 0.5);
  inner.SetStatus("folder", 0);
  inner.SetProgress(0.5);
  EXPECT_THAT(parent.Statuses(), ElementsAre(Pair(0, "folder")));
  EXPECT_THAT(parent.Progress(), ElementsAre(0.875));
}

TEST(Process, NestedShowsNothingButErrors) {
  Parent parent;
  LProcessInterfaceNested child(parent);
  child.SetStatus("text", 1);
  child.SetProgress(0.5);
  child.SetErrorF("%s %d", "error", 7);
  EXPECT_THAT(parent.Statuses(), IsEmpty());
  EXPECT_THAT(parent.Progress(), IsEmpty());
  EXPECT_THAT(parent.Errors(), ElementsAre("error 7"));
  EXPECT_FALSE(child.IsToStop());
  parent.StopNow();
  EXPECT_TRUE(child.IsToStop());
  ExpectWaitsReachParent(child, parent);
}

TEST(Process, ChildOfAListOwnsItsItemLineOnly) {
  Parent parent;
  ChildInterface child(parent, 4, 2);
  child.SetProgress(0.5);
  child.SetStatus("below", -1);
  child.SetStatus("action", 0);
  child.SetStatus("item", 1);
  child.SetStatusF(2, "%d%%", 50);
  child.SetError("dropped");
  child.SetProgressIndeterminateOn();
  child.SetProgressIndeterminateOff();
  EXPECT_THAT(parent.Progress(), ElementsAre(0.625));
  EXPECT_THAT(parent.Statuses(), ElementsAre(Pair(1, "item"), Pair(2, "50%")));
  EXPECT_THAT(parent.Errors(), IsEmpty());
  EXPECT_THAT(parent.Indeterminate(), IsEmpty());
  ExpectWaitsReachParent(child, parent);
}

TEST(Process, ChildStopsByParentOrByItself) {
  Parent parent;
  ChildInterface child(parent, 1, 0);
  EXPECT_FALSE(child.IsToStop());
  child.bStop = true;
  EXPECT_TRUE(child.IsToStop());
  child.bStop = false;
  parent.StopNow();
  EXPECT_TRUE(child.IsToStop());
}

TEST(Process, LongMessagesAreCut) {
  Parent parent;
  const std::string text(10000, 'x');
  parent.SetErrorF("%s", text.c_str());
  parent.SetStatusF(1, "%s", text.c_str());
  EXPECT_EQ(parent.Errors().at(0), text.substr(0, 8191));
  EXPECT_EQ(parent.Statuses().at(0).second, text.substr(0, 8191));
}

TEST(ProcessVoid, WaitsForTimeAndSignalsAndNeverStops) {
  LProcessInterfaceVoid process;
  const Stopwatch watch;
  EXPECT_EQ(process.ProcessWait(60), LProcessResultOk);
  EXPECT_GE(watch.Ms(), 59);
  EXPECT_FALSE(process.IsToStop());
  LSignalObject signal, other;
  LSignalObjectGroup group;
  EXPECT_EQ(process.ProcessWaitSignalObjectGroupForever(group), LProcessResultFailed) << "an empty group";
  EXPECT_TRUE(group.Add(other.Ref()) && group.Add(signal.Ref()));
  EXPECT_EQ(process.ProcessWaitSignal(signal.Ref(), 20), LProcessResultFailed);
  EXPECT_EQ(process.ProcessWaitSignalObjectGroup(group, 20), LProcessResultFailed);
  signal.Signal();
  EXPECT_EQ(process.ProcessWaitSignalForever(signal.Ref()), LProcessResultOk);
  EXPECT_EQ(process.ProcessWaitSignalObjectGroupForever(group), LProcessResultOk) << "it stays until it is reset";
}

}  // namespace
