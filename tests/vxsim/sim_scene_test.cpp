#include "tools/vxsim/sim_scene.h"

#include <gtest/gtest.h>

#include "animation/animation.h"
#include "commands/animation_commands.h"
#include "commands/animation_control_commands.h"
#include "commands/misc_commands.h"
#include "commands/node_commands.h"
#include "commands/transaction_commands.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"

namespace {

class SimScene : public ::testing::Test {
 protected:
  void SetUp() override {
    scene_.apply(VXCreateNodeCommand("Group", "title", ""));
    scene_.apply(VXCreateNodeCommand("Text", "txt", "Root/title"));
  }
  // The text of the exception apply() throws, or "applied".
  std::string failureOf(const VXCommand& record) {
    try {
      scene_.apply(record);
    } catch (const VXSimSceneException& e) {
      return e.what();
    }
    return "applied";
  }

  VXSimScene scene_;
};

}  // namespace

TEST_F(SimScene, AddressesWithAndWithoutRootNameTheSameNode) {
  EXPECT_EQ(scene_.find("title/txt"), scene_.find("Root/title/txt"));
  EXPECT_EQ(scene_.find("/title/txt/"), scene_.find("Root/title/txt"));
  EXPECT_EQ(scene_.find(""), &scene_.getRoot());
  EXPECT_EQ(scene_.find("title/none"), nullptr);
}

TEST_F(SimScene, CopiesRenamesAndDeletesNodesWithTheirAttributes) {
  scene_.apply(
      VXSetAttributeCommand("title/txt", "Text", std::make_unique<AFCAttributeString>("a")));
  scene_.apply(VXCopyNodeCommand("title", "copy", ""));
  scene_.apply(
      VXSetAttributeCommand("title/txt", "Text", std::make_unique<AFCAttributeString>("b")));
  EXPECT_EQ(scene_.find("copy/txt")->attributes.at("Text")->toString(), "a");

  scene_.apply(VXRenameTargetCommand("copy/txt", "label"));
  EXPECT_EQ(scene_.find("copy/txt"), nullptr);
  EXPECT_NE(scene_.find("copy/label"), nullptr);
  scene_.apply(VXDeleteNodeCommand("copy"));
  EXPECT_EQ(scene_.find("copy/label"), nullptr);
  EXPECT_EQ(scene_.getRoot().children.size(), 1u);
}

TEST_F(SimScene, NamesStayFindableThroughRenamesCopiesAndDeletesAmongManySiblings) {
  // Long names live outside the string object: the lookup must not keep stale views of them.
  const std::string prefix = "a-name-longer-than-any-inline-buffer-";
  for (int i = 0; i < 200; ++i) {
    scene_.apply(VXCreateNodeCommand("Text", prefix + std::to_string(i), "title"));
  }
  scene_.apply(VXRenameTargetCommand("title/" + prefix + "7", prefix + "renamed"));
  scene_.apply(VXDeleteNodeCommand("title/" + prefix + "8"));
  scene_.apply(VXCreateNodeCommand("Group", prefix + "8", "title"));  // the name is free again
  scene_.apply(VXCopyNodeCommand("title", "copy", ""));
  scene_.apply(VXRenameTargetCommand("copy/" + prefix + "9", "nine"));

  for (const std::string parent : {"title/", "copy/"}) {
    EXPECT_EQ(scene_.find(parent + prefix + "7"), nullptr) << parent;
    ASSERT_NE(scene_.find(parent + prefix + "renamed"), nullptr) << parent;
    EXPECT_EQ(scene_.find(parent + prefix + "renamed")->name, prefix + "renamed");
    EXPECT_EQ(scene_.find(parent + prefix + "8")->type, "Group") << parent;
    EXPECT_EQ(scene_.find(parent + prefix + "199")->name, prefix + "199") << parent;
  }
  // A short name lives inside the string object, so a stale view of it would still match.
  scene_.apply(VXRenameTargetCommand("title/txt", "txt2"));
  EXPECT_EQ(scene_.find("title/txt"), nullptr);
  EXPECT_EQ(scene_.find("title/txt2")->type, "Text");
  EXPECT_EQ(scene_.find("copy/" + prefix + "9"), nullptr);
  EXPECT_EQ(scene_.find("copy/nine")->name, "nine");
  EXPECT_EQ(scene_.find("title/" + prefix + "9")->name, prefix + "9");  // the original kept it
  EXPECT_EQ(failureOf(VXCreateNodeCommand("Text", prefix + "renamed", "title")),
            "Node already exists: Root/title/" + prefix + "renamed");
  EXPECT_EQ(failureOf(VXRenameTargetCommand("copy/nine", "txt")),
            "Node already exists: Root/copy/txt");
  EXPECT_EQ(scene_.find("copy/txt")->type, "Text");
}

TEST_F(SimScene, RefusesRecordsWithoutTheirNodesAndLeavesTheSceneAsItWas) {
  const std::string before = scene_.dumpTree();
  EXPECT_EQ(failureOf(VXCreateNodeCommand("Group", "x", "nowhere")),
            "Node not found: Root/nowhere");
  EXPECT_EQ(failureOf(VXCreateNodeCommand("Group", "txt", "title")),
            "Node already exists: Root/title/txt");
  EXPECT_EQ(failureOf(VXRenameTargetCommand("title", "title")), "Node already exists: Root/title");
  EXPECT_EQ(failureOf(VXDeleteNodeCommand("")), "Node not found: Root");
  EXPECT_EQ(failureOf(VXDeleteEffectCommand("title/txt")), "Effect not found: Root/title/txt");
  EXPECT_EQ(failureOf(VXSetAttributeCommand("gone", "A", std::make_unique<AFCAttributeInt32>(1))),
            "Node not found: Root/gone");
  EXPECT_EQ(scene_.dumpTree(), before);
}

TEST_F(SimScene, EffectsAreCreatedActivatedAndDeleted) {
  scene_.apply(VXCreateEffectCommand("Blur", "fx", "title"));
  EXPECT_FALSE(scene_.find("title/fx")->active);
  scene_.apply(VXActivateEffectCommand("title/fx"));
  EXPECT_TRUE(scene_.find("title/fx")->active);
  scene_.apply(VXDeleteEffectCommand("title/fx"));
  EXPECT_EQ(scene_.find("title/fx"), nullptr);
}

TEST_F(SimScene, ALoadedSceneIsANodeThatRecordsTheSceneName) {
  scene_.apply(VXLoadSceneCommand("lower_third", "title", "lt"));
  EXPECT_EQ(scene_.find("title/lt")->sceneName, "lower_third");
  EXPECT_NE(scene_.dumpTree().find("    lt (Scene) scene=lower_third\n"), std::string::npos);
}

TEST_F(SimScene, AnimationsAreKeptPerTargetAndName) {
  scene_.apply(VXActivateAnimationCommand("in", "title", VXActivateAnimationOptions()));
  scene_.apply(VXAccelerateAnimationCommand("in", "title", 2.0f, 0));
  scene_.apply(
      VXStoreLocalAnimationCommand("fade", "title/txt", AFCRef<VXAnimation>(new VXAnimation)));
  scene_.apply(VXActivateClientAnimationCommand(AFCRef<VXAnimation>(new VXAnimation), "title/txt",
                                                VXActivateAnimationOptions()));
  const auto& title = scene_.find("title")->animations;
  EXPECT_TRUE(title.at("in").running);
  EXPECT_EQ(title.at("in").speed, 2.0f);
  scene_.apply(VXStopAnimationCommand("in", "title", 40));
  EXPECT_FALSE(title.at("in").running);
  EXPECT_EQ(title.at("in").stopTime, 40);

  const auto& txt = scene_.find("title/txt")->animations;
  EXPECT_TRUE(txt.at("fade").stored);
  EXPECT_TRUE(txt.at("<client>").running);
  scene_.apply(VXRemoveLocalAnimationCommand("fade", "title/txt"));
  EXPECT_FALSE(txt.contains("fade"));
  EXPECT_EQ(failureOf(VXRemoveLocalAnimationCommand("fade", "title/txt")),
            "Animation not found: fade on Root/title/txt");
}

TEST_F(SimScene, SessionRecordsAreRecordedInOrder) {
  scene_.apply(VXTransactionBeginCommand("T1", false));
  scene_.apply(VXActivateActionCommand("show", "T1", false, "title"));
  scene_.apply(VXTransactionRollCommand("T1"));
  scene_.apply(VXTransactionStopCommand("T2"));
  scene_.apply(VXTransactionEndCommand());
  scene_.apply(VXPreviewCommand(4, VXPreviewCommand::kSequenceBegin));
  scene_.apply(VXPreloadCommand("title"));
  scene_.apply(VXWaitCommand(10));
  scene_.apply(VXWaitCommand(5));
  scene_.apply(VXMessageCommand("note"));
  EXPECT_EQ(scene_.getTransactions(),
            (std::vector<std::string>{"begin T1", "roll T1", "stop T2", "end"}));
  EXPECT_EQ(scene_.getActions(), std::vector<std::string>{"show on Root/title in T1"});
  EXPECT_EQ(scene_.getPreviews(), std::vector<std::string>{"4 type 1"});
  EXPECT_EQ(scene_.getPreloads(), std::vector<std::string>{"Root/title"});
  EXPECT_EQ(scene_.getWaitTotal(), 15);
  EXPECT_EQ(scene_.getMessages(), std::vector<std::string>{"note"});
}

TEST_F(SimScene, ZoneChangesAreKeptUntilTaken) {
  VXZonesState zones;
  zones.set("L3", true);
  scene_.apply(VXSetZoneStateCommand(zones));
  EXPECT_TRUE(scene_.getZones().get("L3"));
  EXPECT_EQ(scene_.takeZoneChanges(), zones);
  EXPECT_EQ(scene_.takeZoneChanges().size(), 0u);
}

TEST_F(SimScene, TheTreeDumpIndentsChildrenAndAttributes) {
  scene_.apply(VXSetAttributeCommand("title/txt", "Size", std::make_unique<AFCAttributeInt32>(3)));
  EXPECT_EQ(scene_.dumpTree(), "Root\n  title (Group)\n    txt (Text)\n      .Size = 3\n");
}

TEST_F(SimScene, RefusesTreesDeeperOrLargerThanItsBounds) {
  std::string parent = "title/txt";
  for (std::size_t depth = 2; depth < VXSimScene::kMaxDepth; ++depth) {
    scene_.apply(VXCreateNodeCommand("Group", "n", parent));
    parent += "/n";
  }
  EXPECT_EQ(failureOf(VXCreateNodeCommand("Group", "n", parent)).rfind("Node too deep: ", 0), 0u);
  EXPECT_EQ(failureOf(VXCopyNodeCommand("title", "deep", "title/txt")).rfind("Node too deep: ", 0),
            0u);

  // Copies double the tree: it stops at the node bound, whole copies only.
  scene_.apply(VXDeleteNodeCommand("title/txt/n"));
  std::string failure;
  for (int copy = 0; copy < 40 && failure.empty(); ++copy) {
    const std::string text =
        failureOf(VXCopyNodeCommand("title", "c" + std::to_string(copy), "title"));
    if (text != "applied") failure = text;
  }
  EXPECT_EQ(failure, "Scene is full");
  EXPECT_LE(scene_.getRoot().countNodes() - 1, VXSimScene::kMaxNodes);
}
