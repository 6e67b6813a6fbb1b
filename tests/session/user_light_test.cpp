#include "session/session_fixture.h"
