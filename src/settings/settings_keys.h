#pragma once
// The keys of a configuration's section of dnc.ini, spelled as the setup dialog writes them.
// Key names match without regard to case, so the readers use the same names. No key has a
// default: a missing key reads as the empty string and each reader decides what follows from
// it (the flags Wait-Xon and Space read as off, the dialog selects the first entry of a list).

#include <QLatin1String>
#include <array>

namespace SettingsKey {
inline constexpr QLatin1String Port{"Port"}; // "COM1:" to "COM4:"
inline constexpr QLatin1String Baud{"Baud"};
inline constexpr QLatin1String Parity{"Parity"}; // the first letter: "E", "O", "N"
inline constexpr QLatin1String Data{"Data"};
inline constexpr QLatin1String Stop{"Stop"};
inline constexpr QLatin1String CNC{"CNC"};          // "303", "504" or "XonXoff"
inline constexpr QLatin1String Soft{"Soft"};        // stored and shown, used by nothing else
inline constexpr QLatin1String WaitXon{"Wait-Xon"}; // "1": wait for X-on before a stream
inline constexpr QLatin1String Space{"Space"};      // "1": spaces are not sent
inline constexpr QLatin1String TapeDir{"TapeDir"};  // folder of the file last sent
inline constexpr QLatin1String CNCDir{"CNCDir"};    // folder of the program last saved
inline constexpr QLatin1String Journal{"Journal"};  // "0": no journal of the transfers

// The line settings behind Port in ComSettings, in their order there.
inline constexpr std::array<QLatin1String, 4> Line{Baud, Parity, Data, Stop};
// The setup dialog's lists Combo1 to Combo7, in their order.
inline constexpr std::array<QLatin1String, 7> Lists{Port, Baud, Parity, Data, Stop, CNC, Soft};

// How the flags are written.
inline constexpr QLatin1String On{"1"};
inline constexpr QLatin1String Off{"0"};
} // namespace SettingsKey
