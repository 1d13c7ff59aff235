#pragma once

#include "Runner/Host/Files.h"

namespace Runner
{
// Asked before each file operation: whether this one is to fail (FailFileOperation), with errno set as a full disk
// does.
bool Faulty(FileOperation kind);
} // namespace Runner
