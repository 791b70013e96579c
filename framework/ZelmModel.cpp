#include "framework/ZelmModel.h"
