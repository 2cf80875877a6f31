// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

namespace vela::system
{

/// The side of a device that data belongs to. Numbers that have no name here mean Default.
struct SecurityPerimeter
{
    enum Type : int
    {
        Default = 0,  ///< 0: no side in particular.
        Personal = 1, ///< 1: the owner's own side.
        Work = 2,     ///< 2: the side that an employer manages.
    };
};

} // namespace vela::system
