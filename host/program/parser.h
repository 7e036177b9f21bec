#pragma once

/// The command line's parser, for headers. <CLI/CLI.hpp> is slow to compile; only sources that use it include it.
namespace CLI {

class App;
class Error;
class Option;
class Validator;

}  // namespace CLI
