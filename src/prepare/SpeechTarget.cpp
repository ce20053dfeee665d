#include "prepare/SpeechTarget.h"
