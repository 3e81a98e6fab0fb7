// tessik-rig: the simulated desk and recorder as clients of the ALSA sequencer, to stand in for real ones.
#include "TessikRig/SimulatedConsole.h"

int main() { return 0; }
