#pragma once

/// @file
/// The harness for providers and modules that are built on the library; see
/// docs/testing-a-provider.md.

#include "cimhost/testing.h"
#include "pylcommon/testing/FakeHost.h"
#include "pylcommon/testing/ProviderHost.h"
#include "pylcommon/testing/SystemName.h"
