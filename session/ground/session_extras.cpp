#include "session/ground/session_extras.h"

SessionExtras sessionExtras;
