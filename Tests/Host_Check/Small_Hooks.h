#pragma once

#include "Host_Check/Host_Check.h"

namespace SmallHost
{

const HostCheck::Hooks& Hooks();

} // namespace SmallHost
