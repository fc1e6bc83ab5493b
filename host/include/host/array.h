// The interpreter's arrays and the registration of gateway functions.
//
// A gateway receives the number of outputs asked for, the output slots, the number of inputs and the inputs. Whatever
// it stores in a slot belongs to the caller. Distinct arrays may be used from distinct threads.
#pragma once

#include "host/export.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

enum class hxClass { floating, character, cell };

class hxArray;

struct KORVANE_HOST_API hxArrayDeleter {
    void operator()(hxArray* array) const noexcept;
};
using hxArrayPtr = std::unique_ptr<hxArray, hxArrayDeleter>;

// The class of the array's elements.
KORVANE_HOST_API hxClass hxGetClass(const hxArray* array);

// Whether the array is of the character class.
KORVANE_HOST_API bool hxIsChar(const hxArray* array);

// The text of a character array, UTF-16. Throws std::invalid_argument for any other class.
KORVANE_HOST_API std::u16string get_ustring(const hxArray* array);

// The number in a 1-by-1 double array. Throws std::invalid_argument for any other class.
KORVANE_HOST_API double hxGetScalar(const hxArray* array);

// New arrays, the caller's to destroy with hxDestroyArray.
KORVANE_HOST_API hxArray* hxCreateDoubleScalar(double value);
KORVANE_HOST_API hxArray* hxCreateString(std::u16string_view text);
// A cell that owns its elements.
KORVANE_HOST_API hxArray* hxCreateCell(std::vector<hxArrayPtr> elements);

// Accepts null.
KORVANE_HOST_API void hxDestroyArray(hxArray* array) noexcept;

using hxGateway = void (*)(int outputCount, hxArray* outputs[], int inputCount, hxArray* inputs[]);

// Makes a gateway known to the interpreter under a name; a second registration of the name replaces the first. Any
// thread.
KORVANE_HOST_API void hxRegisterGateway(const std::string& name, hxGateway gateway);

// Calls a registered gateway as the interpreter does: `outputCount` slots (one at least, as the interpreter always
// offers the slot of "ans"), all null at first. Gives back the slots. What the gateway throws passes through; an
// unknown name throws std::invalid_argument.
KORVANE_HOST_API std::vector<hxArrayPtr> hxCallGateway(const std::string& name, int outputCount,
                                                       const std::vector<hxArrayPtr>& inputs);
