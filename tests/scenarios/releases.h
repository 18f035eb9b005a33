// What the maker has released: update lists as the web server tells them, and the firmware files of each system.
#pragma once

#include <string>
#include <vector>

#include "platform/virtual/scripted_world.h"
#include "units/firmware.h"
#include "world.h"

namespace firmlane::test {

enum class Line { Wireless, Velarc2 };

/// One released system. The Velarc2's has no Front of its own; its rf is the image of both fronts.
struct Release {
  std::string system;
  sim::Version dsp;
  sim::Version hub;
  sim::Version rf;
  sim::Version front;
};

inline constexpr const char* kServer = "http://maker.example";

/// The released systems of a product line, newest first. The simulated units of the tests are as old as the last.
const std::vector<Release>& releases(Line line);

/// The name, the content and the address of each file of a system.
struct SetFile {
  std::string name;
  std::string url;
  Bytes content;
};
std::vector<SetFile> setFiles(Line line, const Release& release);

std::string updateListUrl(Line line);
std::string updateList(Line line);

/// Lets the server offer everything of a product line.
void serve(ScriptedHttp& http, Line line);
/// Puts a system into the program's directory, with the system version file that names it.
void putOnDisk(const TemporaryDirectory& directory, Line line, const Release& release);

}  // namespace firmlane::test
