// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QString>

/// Tags of the platform. A place may have any other text as a tag; tags are compared exactly.
namespace vela::platform::places::Tags
{

extern PLACES_EXPORT const QString Favorite;        ///< "lbs-favorite"
extern PLACES_EXPORT const QString Home;            ///< "lbs-home": the home of a person.
extern PLACES_EXPORT const QString Work;            ///< "lbs-work": the workplace of a person.
extern PLACES_EXPORT const QString MyHome;          ///< "lbs-my-home": the home of the device's owner.
extern PLACES_EXPORT const QString MyWork;          ///< "lbs-my-work": the workplace of the device's owner.
extern PLACES_EXPORT const QString MyLocation;      ///< "mylocation"
extern PLACES_EXPORT const QString CurrentLocation; ///< "currentlocation"
extern PLACES_EXPORT const QString Airport;         ///< "lbs-airport"

extern PLACES_EXPORT const char Automotive[];       ///< "lbs-automotive"
extern PLACES_EXPORT const char Bank[];             ///< "lbs-bank"
extern PLACES_EXPORT const char Entertainment[];    ///< "lbs-entertainment"
extern PLACES_EXPORT const char HealthCare[];       ///< "lbs-health-care"
extern PLACES_EXPORT const char Lodging[];          ///< "lbs-lodging"
extern PLACES_EXPORT const char PersonalServices[]; ///< "lbs-personal-services"
extern PLACES_EXPORT const char PublicOffices[];    ///< "lbs-public-offices"
extern PLACES_EXPORT const char Restaurant[];       ///< "lbs-restaurant"
extern PLACES_EXPORT const char Shopping[];         ///< "lbs-shopping"
extern PLACES_EXPORT const char Travel[];           ///< "lbs-travel"

} // namespace vela::platform::places::Tags
