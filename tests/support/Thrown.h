#pragma once

#include <exception>
#include <string>
#include <typeinfo>

namespace test {

/// The message of the `Error` that `call` throws, which must be of exactly that class. Everything
/// else gives a text that no message equals, so that a comparison with the expected one fails and
/// shows what happened.
template <class Error, class Call>
std::string thrownBy(const Call& call) {
  try {
    call();
  } catch (const Error& error) {
    return typeid(error) == typeid(Error) ? std::string(error.what())
                                          : std::string("(another class) ") + typeid(error).name();
  } catch (const std::exception& error) {
    return std::string("(another exception) ") + error.what();
  }
  return "(nothing thrown)";
}

}  // namespace test
