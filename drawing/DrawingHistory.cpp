#include "drawing/DrawingHistory.h"
