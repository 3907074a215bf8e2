#pragma once

#include <memory>

#include "RowFormat.h"

std::unique_ptr<RowFormat> MakeTextFormat();
