#pragma once

// The CHANNEL.DSC that a new installation starts with: the 1,027 keyed records (real names,
// units and scales for the channels loggers commonly carry) and the ten group names.

#include "core/outing/ChannelDescriptors.h"

ChannelDescriptorFile FactoryChannelDescriptors();
