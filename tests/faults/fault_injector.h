#pragma once

// What fault_injector.cpp and fault_injector_windows.cpp export. Tests use class Faults.

extern "C" {

/// What happens to the call that is hit.
enum zv_fault_action {
    zv_fault_none, ///< nothing: calls are only counted
    zv_fault_fail, ///< the call fails with an error
    zv_fault_short, ///< a read or write handles half of its bytes; other calls aren't hit
    zv_fault_kill, ///< the process is killed before the call
    zv_fault_tear, ///< a write handles half of its bytes, then the process is killed
    zv_fault_meanwhile, ///< something else happens before the call, whose own calls don't count
};

struct zv_fault
{
    int number; ///< which call is hit, from 1
    zv_fault_action action;
    int error; ///< error number of a call that fails
    int lasts; ///< other than 0: later calls that take space fail with the error
    void (*meanwhile)() = nullptr; ///< what happens before the call
};

/// Counts the calls on files and folders at or below \p folder, an absolute path in the platform's
/// narrow text, from now on, and hits one. Calls of all threads count.
void zv_faults_arm(const char* folder, const zv_fault* fault);

/// Ends that.
void zv_faults_disarm();

/// The number of calls since zv_faults_arm().
int zv_faults_calls();

/// How often the bytes of a file were brought to the disk since zv_faults_arm().
int zv_faults_syncs();

/// The name of the function that was hit first, or an empty text. Valid until zv_faults_arm().
const char* zv_faults_struck();
}
