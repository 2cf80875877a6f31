// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/Program.h"

int main(int argc, char **argv)
{
    return placesd::run(argc, argv);
}
