/* An exclusive area: a lock with a level and a name. A worker enters and leaves it (Worker.h), a worker
 * factory makes and destroys it (WorkerFactory.h). */
#ifndef ZUV_PLATFORM_MAVO_EXCLUSIVE_AREA_H
#define ZUV_PLATFORM_MAVO_EXCLUSIVE_AREA_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct MAVOExclusiveArea MAVOExclusiveArea;

/* The level and the name that the area was made with; the name lives as long as the area. `self` must not be
 * NULL. Any thread. */
int MAVOExclusiveArea_getLevel(const MAVOExclusiveArea *self);
const char *MAVOExclusiveArea_getName(const MAVOExclusiveArea *self);

#ifdef __cplusplus
}
#endif

#endif
