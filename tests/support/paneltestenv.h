#pragma once

// For programs written against the earlier panel-test header: the same environment
// with the headers that header brought along.
#include "support/testenv.h"

#include "direction/cptzcloud.h"
#include "panel/cpreviewptzwnd.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
