#pragma once

#include <memory>

#include "RowFormat.h"

namespace reader {

std::unique_ptr<RowFormat> MakeJsonFormat();

}  // namespace reader
