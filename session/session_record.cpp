#include "session/session_record.h"

SessionRecord* session;
