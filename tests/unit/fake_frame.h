// The interpreter's array as the unit tests have it.
#pragma once

#include "host/array.h"

#include <string>

class hxArray {
public:
    // How the events call the array.
    std::string name;
    hxClass elementClass = hxClass::floating;
    std::u16string text;
    double scalar = 0;
};
