// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

namespace vela::system
{

/// Perimeter of data on a device. Numbers without a name here mean Default.
struct SecurityPerimeter
{
    enum Type : int
    {
        Default = 0,  ///< 0: no specific perimeter.
        Personal = 1, ///< 1: the owner's personal perimeter.
        Work = 2,     ///< 2: the perimeter managed by an employer.
    };
};

} // namespace vela::system
