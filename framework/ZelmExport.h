#pragma once

/// Marks what libzelmorvane.so exports; everything else is hidden.
#define ZELM_EXPORT __attribute__((visibility("default")))
/// Marks what is nobody's business in an exported class.
#define ZELM_HIDDEN __attribute__((visibility("hidden")))
