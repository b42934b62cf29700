#pragma once

// For programs written against the earlier controller-test header: the same environment
// with the headers that header brought along.
#include "support/testenv.h"

#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
