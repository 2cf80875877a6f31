// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// Tags that the service sets on results that are no stored places: suggestions and search terms.
namespace vela::platform::places::InternalTags
{

extern const char Suggestion[];
extern const char SuggestionAddress[];
extern const char SuggestionAirport[];
extern const char SuggestionCategory[];
extern const char SuggestionGas[];
extern const char SuggestionPointOfInterest[];
extern const char RecentSearchTerm[];
extern const char RecentSearchPointOfInterestCategory[];

} // namespace vela::platform::places::InternalTags
