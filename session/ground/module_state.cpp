#include "session/ground/module_state.h"

HINSTANCE moduleInstance;
int sessionResult;
char languageCode[4];
