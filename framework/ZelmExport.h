#pragma once

/// Marks what libzelmorvane.so exports; everything else is hidden.
#define ZELM_EXPORT __attribute__((visibility("default")))
