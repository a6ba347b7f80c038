#include "zebreport.h"
