// The parts of the program. Each prints its figures and returns whether all was right.
#pragma once

namespace tarn::faults {

/// Every file call of every operation meets every fault; of all points, one in `one_in` is tried.
bool every_call(int one_in);
/// Programs and threads that move amounts between entities, with and without kills, for so long.
bool processes(int seconds);
/// The power is lost in a run of saves: so many of the states that the disk may then have.
bool power_loss(int states);

}  // namespace tarn::faults
