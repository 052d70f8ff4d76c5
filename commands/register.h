#pragma once
// Registration of the command layer's classes.

// Touches the class record of every command record and action class (and the foundation's),
// so that the persistent reader finds them by name. Call it before any reader runs; calling it
// again does nothing new.
void registerCommandClasses();
