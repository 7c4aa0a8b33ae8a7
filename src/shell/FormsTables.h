// The tables "Forms" and "FormsAuthoring" that this plug-in serves to others.
// SPDX-License-Identifier: MIT
#pragma once

/** Makes the table servers; false when a name is taken. The tables are made at the first request and kept. */
bool ServeFormsTables();
