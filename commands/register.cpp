#include "commands/register.h"

#include "animation/register.h"
#include "commands/action.h"
#include "commands/animation_commands.h"
#include "commands/animation_control_commands.h"
#include "commands/misc_commands.h"
#include "commands/node_commands.h"
#include "commands/transaction_commands.h"
#include "commands/zone_state.h"

void registerCommandClasses() {
  registerAnimationClasses();

  VXCommand::staticClass();
  VXCommandWithTarget::staticClass();  // known to its subclasses, not to readers

  VXSetAttributeCommand::staticClass();
  VXCreateNodeCommand::staticClass();
  VXCopyNodeCommand::staticClass();
  VXCreateEffectCommand::staticClass();
  VXRenameTargetCommand::staticClass();
  VXDeleteNodeCommand::staticClass();
  VXActivateEffectCommand::staticClass();
  VXDeleteEffectCommand::staticClass();
  VXLoadSceneCommand::staticClass();
  VXPreloadCommand::staticClass();

  VXActivateAnimationCommandBase::staticClass();  // known to its subclasses, not to readers
  VXActivateAnimationCommand::staticClass();
  VXActivateClientAnimationCommand::staticClass();
  VXStoreLocalAnimationCommand::staticClass();
  VXStopAnimationCommand::staticClass();
  VXAccelerateAnimationCommand::staticClass();
  VXRemoveLocalAnimationCommand::staticClass();
  VXActivateActionCommand::staticClass();

  VXTransactionBaseCommand::staticClass();  // known to its subclasses, not to readers
  VXTransactionBeginCommand::staticClass();
  VXTransactionStopCommand::staticClass();
  VXTransactionRollCommand::staticClass();
  VXTransactionEndCommand::staticClass();

  VXSetZoneStateCommand::staticClass();
  VXSetProjectCommand::staticClass();
  VXCallbackCommand::staticClass();
  VXMessageCommand::staticClass();
  VXWaitCommand::staticClass();
  VXPreviewCommand::staticClass();

  VXAction::staticClass();
  VXImmediateAction::staticClass();
  VXChannelAction::staticClass();
}
