#include "tests/support/panel_fixture.h"
