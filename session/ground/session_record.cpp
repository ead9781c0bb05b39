#include "session/ground/session_record.h"

SessionRecord* session;
