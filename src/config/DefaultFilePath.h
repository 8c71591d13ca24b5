/* Where the files that come with the product lie. */
#ifndef ZUV_CONFIG_DEFAULT_FILE_PATH_H
#define ZUV_CONFIG_DEFAULT_FILE_PATH_H

#ifdef __cplusplus
extern "C" {
#endif

/* Room for a path, terminator included, before and after it is normalized. */
#define BREL_DEFAULT_FILE_PATH_PARTS_SIZE 513
#define BREL_DEFAULT_FILE_PATH_SIZE 1024

/* Write the normalized path of "executablePath/intermidiatePath/fileName" into `normalizedDefaultPath`: see
 * ZUVOsapiUtility_normalizePath. Whether there is such a file is the caller's to find out.
 *
 * A path of 513 characters or more, or one that cannot be normalized, leaves an empty text, after a report;
 * the result is never longer than 512 characters. The buffer is said to have room for
 * BREL_DEFAULT_FILE_PATH_SIZE bytes; BREL_DEFAULT_FILE_PATH_PARTS_SIZE are enough.
 * Returns `normalizedDefaultPath`, or NULL after a report when an argument is NULL. */
char *BRELUtils_getDefaultFileAbsolutePath(char *normalizedDefaultPath, const char *executablePath,
                                           const char *intermidiatePath, const char *fileName);

#ifdef __cplusplus
}
#endif

#endif
