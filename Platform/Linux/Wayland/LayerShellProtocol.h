#pragma once

// The generated header names a parameter "namespace", which C++ reserves.
#define namespace nameOfSpace
#include <wlr-layer-shell-unstable-v1.h>
#undef namespace
