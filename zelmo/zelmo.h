// LibZelmo umbrella header for hosts: includes every public header.
// The library's own sources include what they use, never this header.
#ifndef ZELMO_ZELMO_H_
#define ZELMO_ZELMO_H_

#include "zelmo/export.h"
#include "zelmo/measure/geo_constructor.h"
#include "zelmo/measure/geo_tolerance.h"

#endif  // ZELMO_ZELMO_H_
