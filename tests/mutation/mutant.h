#pragma once

/// Whether the environment chooses the mutant of this number (GARAGE_MUTANT). Notes that it was reached in
/// the file GARAGE_MUTANTS_REACHED, if there is one. Any thread.
bool garageMutant(int number);
