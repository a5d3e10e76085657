#pragma once
/// Which stations a plot of its height shows.

/// Station priority from the domain height (plane units) and the resource "stat_prior".
void DOM_set_base_prior(float height);
int DOM_get_prior();
void DOM_set_loc_prior(int priority);
int DOM_get_loc_prior();
