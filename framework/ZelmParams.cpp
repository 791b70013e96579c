#include "framework/ZelmParams.h"

ZelmParams::~ZelmParams() = default;
