/// @file
/// What tests of own classes need: suites that check an array, a dictionary or a table against what
/// the library expects of it. Needs googletest, in the programs that include it alone.
#pragma once

#include <quillon/testing/ArraySuite.h>
#include <quillon/testing/DataFrameSuite.h>
#include <quillon/testing/DictionarySuite.h>
