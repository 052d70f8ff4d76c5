#pragma once
// Registration of the animation layer's classes.

// Registers the foundation's classes, then touches the class record of every class of this
// layer ("VXAnimation", "VXChannel", "VXActivateAnimationOptionsObject"), so that reflection and
// readers find them by name. Call it before any reader runs; calling it again does nothing new.
void registerAnimationClasses();
