#pragma once

// Marks what the shared library offers to programs: every class of an installed header, and every function
// that is declared outside of a class. All else in the library is hidden. Classes need the mark also when
// they are never linked with: exceptions, and the types that a program asks an object for, are told by what
// it makes visible.

#define QRV_EXPORT __attribute__((visibility("default")))
