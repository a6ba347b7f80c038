#include "blocklayouts.h"
