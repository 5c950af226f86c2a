#pragma once

/// Makes the console show UTF-8, which the program writes, until the program ends. Only a console of
/// Windows has to be told.
void useUtf8Console();
