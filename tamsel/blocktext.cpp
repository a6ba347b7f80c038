#include "blocktext.h"
