#pragma once
// Registration of the session layer's classes.

// Touches the class record of every class of the session layer (and of the layers below), so
// that readers and reflective calls find them by name. Calling it again does nothing new.
void registerClientClasses();
