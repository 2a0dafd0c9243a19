#pragma once

#include <xcb/xcb.h>

// The header names fields after a keyword of C++.
#define explicit explicitKeys
#include <xcb/xkb.h>
#undef explicit
