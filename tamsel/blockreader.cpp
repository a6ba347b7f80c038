#include "blockreader.h"
