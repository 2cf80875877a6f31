// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/ProtocolTypes.h"

namespace orix_places_protocol
{

namespace
{

using SystemPerimeter = vela::system::SecurityPerimeter;

/// Perimeters have different numbers on the wire and in the platform's interface.
constexpr struct
{
    SystemPerimeter::Type system;
    Perimeter wire;
} PERIMETERS[] = {
    {SystemPerimeter::Personal, Perimeter::Personal},
    {SystemPerimeter::Work, Perimeter::Work},
};

} // namespace

Perimeter fromSystemPerimeter(SystemPerimeter::Type perimeter)
{
    for (const auto &entry : PERIMETERS) {
        if (entry.system == perimeter)
            return entry.wire;
    }
    return Perimeter::Default;
}

SystemPerimeter::Type toSystemPerimeter(Perimeter perimeter)
{
    for (const auto &entry : PERIMETERS) {
        if (entry.wire == perimeter)
            return entry.system;
    }
    return SystemPerimeter::Default;
}

} // namespace orix_places_protocol
