// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Tags.h"

#include "model/InternalTags.h"

namespace vela::platform::places
{

namespace Tags
{

const QString Favorite = QStringLiteral("lbs-favorite");
const QString Home = QStringLiteral("lbs-home");
const QString Work = QStringLiteral("lbs-work");
const QString MyHome = QStringLiteral("lbs-my-home");
const QString MyWork = QStringLiteral("lbs-my-work");
const QString MyLocation = QStringLiteral("mylocation");
const QString CurrentLocation = QStringLiteral("currentlocation");
const QString Airport = QStringLiteral("lbs-airport");

const char Automotive[] = "lbs-automotive";
const char Bank[] = "lbs-bank";
const char Entertainment[] = "lbs-entertainment";
const char HealthCare[] = "lbs-health-care";
const char Lodging[] = "lbs-lodging";
const char PersonalServices[] = "lbs-personal-services";
const char PublicOffices[] = "lbs-public-offices";
const char Restaurant[] = "lbs-restaurant";
const char Shopping[] = "lbs-shopping";
const char Travel[] = "lbs-travel";

} // namespace Tags

namespace InternalTags
{

const char Suggestion[] = "lbs-suggestion";
const char SuggestionAddress[] = "lbs-st-address";
const char SuggestionAirport[] = "lbs-st-airport";
const char SuggestionCategory[] = "lbs-st-category";
const char SuggestionGas[] = "lbs-st-gas";
const char SuggestionPointOfInterest[] = "lbs-st-poi";
const char RecentSearchTerm[] = "lbs-search-term";
const char RecentSearchPointOfInterestCategory[] = "lbs-search-poi-cat";

} // namespace InternalTags

} // namespace vela::platform::places
