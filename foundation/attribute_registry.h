#pragma once
// Registration of the attribute kinds and the enum classes they depend on.

// Touches the class record of every attribute kind, so that the persistent reader and
// reflection find them by name, and registers the animation enum classes. Call it before any
// reader runs; calling it again does nothing new.
void registerAttributeClasses();
