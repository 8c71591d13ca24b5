/* What an event generator calls: an event's callback, and those at the start and the end of its thread. */
#ifndef ZUV_PLATFORM_EVENT_GENERATOR_LISTENER_H
#define ZUV_PLATFORM_EVENT_GENERATOR_LISTENER_H

#include "platform/mavo/Worker.h"
#include "platform/osapi/NtpTime.h"

#ifdef __cplusplus
extern "C" {
#endif

#define ZUV_EVENT_STORAGE_FIELD_COUNT 8

/* What an event carries. The generator copies it and does not look into it, beyond comparing bytes. */
typedef struct ZUVEventGeneratorListenerStorage {
    void *field[ZUV_EVENT_STORAGE_FIELD_COUNT];
} ZUVEventGeneratorListenerStorage;

/* What an event does. The poster owns it, and keeps it until its last event has run or the generator is shut
 * down. It may be the first member of a larger record. */
typedef struct ZUVEventGeneratorListener {
    /* The event is due. `now` is the time at which that was found, `time` the one it was posted for,
     * `snoozeTime` the second time of its post, `worker` that of the generator's thread. `storage` is a copy
     * that lasts until the return.
     * Return 0, and the event is over. Return 1 after setting `*nextTime` to have it run again at that time,
     * with what `storage` then holds; `*nextTime` comes equal to `time`. */
    int (*onEvent)(const struct ZUVEventGeneratorListener *self, ZUVNtpTime *nextTime,
                   const ZUVNtpTime *now, const ZUVNtpTime *time, const ZUVNtpTime *snoozeTime,
                   ZUVEventGeneratorListenerStorage *storage, MAVOWorker *worker);
} ZUVEventGeneratorListener;

/* A callback on the generator's thread. `worker` is the generator's own for that thread. */
typedef void (*ZUVEventGeneratorThreadCallback)(void *param, MAVOWorker *worker);

/* What every generator tells. */
typedef struct ZUVEventGeneratorStopListener {
    ZUVEventGeneratorThreadCallback onStopped; /* or NULL; the last act of the thread */
    void *onStoppedParam;
} ZUVEventGeneratorStopListener;

/* What a generator with a thread of its own tells besides. */
typedef struct ZUVEventActiveGeneratorListener {
    ZUVEventGeneratorStopListener parent;
    ZUVEventGeneratorThreadCallback onStarted; /* or NULL; before the first event */
    void *onStartedParam;
} ZUVEventActiveGeneratorListener;

#ifdef __cplusplus
}
#endif

#endif
