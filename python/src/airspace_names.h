// SPDX-License-Identifier: MIT
#pragma once

#include "binding.h"

// For bindings of trevallo-airspace: NAME(time) and the others are of the class that CLASS is defined as.
#define NAME(member) NAME_OF(CLASS, member)
#define NAME_OF(Class, member) TREVALLO_NAME(airspace::Class, member)
#define MEMBER(member) NAME(member), &airspace::CLASS::member
#define READ(member) property(NAME(member), [](airspace::CLASS const& self) { return self.member; })
#define READ_WRITE(member) dataMember(MEMBER(member))
