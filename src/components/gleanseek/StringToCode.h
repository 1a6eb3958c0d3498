#pragma once
// The printable form in which the hit viewer shows a line of a file: quoted
// runs of ordinary characters joined by " & " to names for the control
// characters between them, for example
//   A<tab>B        ->  "A" &   "B"
//   say "hi"<CR>   ->  "say ""hi""" & <CR>
// so that tabs, line ends and other invisible bytes can be seen.

#include <string>

namespace gleanseek {

void StringToCode(const std::string& sIn, std::string& sOut);

} // namespace gleanseek
