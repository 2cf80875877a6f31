// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// Exports the functions of the platform's C interfaces.
#define VELA_SYSTEM_EXPORT extern "C" __attribute__((visibility("default")))
