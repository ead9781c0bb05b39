#include "selection/selection_progress.h"

SelectionProgress selectionProgress;
