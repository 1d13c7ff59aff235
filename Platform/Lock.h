#pragma once

// The lock around string reference counts. Re-entrant on one thread: freeing a string's record takes it twice.
void LOCK_RVALUE_MUTEX();
void UNLOCK_RVALUE_MUTEX();
