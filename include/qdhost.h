/*
 * qdhost.h - the interface between a modelling-language host runtime and a
 * loadable I/O module such as qdsheet.
 *
 * A host loads the module's shared object, looks up `qdsheet_init` and calls
 * it once with a filled-in `qd_host` table.  The module answers with its
 * description: no constants, functions or types, but a service table whose
 * service 8 is the list of I/O drivers.  Every driver is a zero-terminated
 * list of (tag, operation) pairs.
 *
 * Everything here is plain C so that a host written in C can implement it.
 *
 * Host objects
 * ------------
 * Sets, arrays, lists, records and external objects are opaque `void *`
 * handles owned by the host.  A "context" is one running model; every call
 * that may print or allocate takes it.
 *
 * Type words (`qd_type`)
 * ----------------------
 *   bits 0..11   base type: 1 integer, 2 real, 3 string, 4 boolean;
 *                above 4 an external type (of another module) or a record type
 *   bits 12..16  structure: QD_VALUE 0, QD_REF 0x1000, QD_ARRAY 0x2000,
 *                QD_SET 0x3000, QD_LIST 0x4000, QD_RECORD 0xA000
 *   0x20000      the object is dynamic (it may grow when data is read)
 *   0x40000      on an index set's element type: the set is a declared set of
 *                the model, so two arrays indexed by different declared sets
 *                are not compatible; anonymous sets (ranges) lack the marker
 *
 * Record descriptions
 * -------------------
 * A record type's description is an array of ints, one per field in field
 * order and terminated by 0, obtained with `typeInfo(ctx, type, QD_INFO_DESC,
 * &ptr)`.  Each entry is a type word whose bits 12..21 hold the field's number
 * (used with recordField / recordValue) and whose bits from 22 up hold the
 * distance, in ints, from this entry to the description of the nested record
 * when the field is itself a record (0 otherwise).  The base type bits of a
 * nested record field are that record's type, for which `typeInfo(...,
 * QD_INFO_STRUCT, ...)` answers QD_RECORD.
 *
 * Values (`qd_value`)
 * -------------------
 * Basic values travel in a `qd_value`: `i` for integers, `r` for reals, `s`
 * for strings (a host text handle from `textHandle`, or any zero-terminated
 * text when given to the host), `b` for booleans, `p` for references (records,
 * external objects, arrays inside lists).  The value reference of a scalar
 * item in a transfer points to a `qd_value` (basic types) or is the object
 * itself (records and external types).
 */
#ifndef QDHOST_H
#define QDHOST_H

#include <stdarg.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct qd_context qd_context; /* one running model, opaque */
typedef unsigned int qd_type;
typedef int64_t qd_int;

typedef union qd_value {
    qd_int i;
    double r;
    const char *s;
    int b;
    void *p;
} qd_value;

/* Structure bits of a type word. */
#define QD_BASE_MASK 0xFFFu
#define QD_STRUCT_MASK 0x1F000u
#define QD_VALUE 0x0000u
#define QD_REF 0x1000u
#define QD_ARRAY 0x2000u
#define QD_SET 0x3000u
#define QD_LIST 0x4000u
#define QD_RECORD 0xA000u
#define QD_DYNAMIC 0x20000u
#define QD_DECLARED_SET 0x40000u

#define QD_INT 1u
#define QD_REAL 2u
#define QD_STRING 3u
#define QD_BOOL 4u

/* Record description entries. */
#define QD_FIELD_NUMBER(entry) (((unsigned)(entry) >> 12) & 0x3FFu)
#define QD_FIELD_NESTED(entry) ((unsigned)(entry) >> 22)

/* typeInfo questions. */
#define QD_INFO_PROPS 1  /* int: property bits; QD_PROP_TEXT both set = text conversion */
#define QD_INFO_STRUCT 2 /* int: structure of the type (QD_RECORD for records) */
#define QD_INFO_DESC 3   /* const int *: the record description */
#define QD_PROP_TEXT 0xCu

/* getParameter numbers. */
#define QD_PARAM_REALFMT 1  /* const char *: printf format for reals */
#define QD_PARAM_FINALISE 7 /* int: finalise sets after loading */

/* openStream flags: bit 0 binary, bit 1 write (create or truncate),
 * bit 6 read an existing file (fails when it does not exist or cannot be
 * read).  The module uses 0 and 64 to read, 65 to probe a binary file, 2 and
 * 3 to create.  closeStream modes: 0 after reading, 2 after writing. */
#define QD_STREAM_BINARY 1
#define QD_STREAM_WRITE 2
#define QD_STREAM_EXISTING 64

/* recordValue modes. */
#define QD_FIELD_GET 0
#define QD_FIELD_SET 1

/* copyObject flags. */
#define QD_COPY_OBJECT 0 /* source is an object of the same type */
#define QD_COPY_TEXT 1   /* source is a zero-terminated text to convert */

/* findFile flags: bit 1 the file is to be written, bit 2 the name is a data
 * file name (always set by the module). */

/*
 * The host interface.  Unless said otherwise an int result is 0 on success
 * and non-zero on failure.
 */
typedef struct qd_host {
    /* Parameters: QD_PARAM_REALFMT writes a const char *, QD_PARAM_FINALISE
     * an int, into *out.  Answers 0 when the parameter exists. */
    int (*getParameter)(qd_context *ctx, int number, void *out);

    /* Sets (index sets included).  Positions run from firstIndex to
     * lastIndex inclusive; an empty set has lastIndex < firstIndex. */
    int (*setSize)(void *set);
    qd_type (*setElementType)(void *set);
    int (*setFirstIndex)(void *set);
    int (*setLastIndex)(void *set);
    /* Adds the value when new; *position receives its position (new or old). */
    int (*setAdd)(qd_context *ctx, void *set, const qd_value *value, int *position);
    int (*setElement)(qd_context *ctx, void *set, int position, qd_value *out);
    int (*lockSet)(qd_context *ctx, void *set);
    int (*unlockSet)(qd_context *ctx, void *set);
    int (*finaliseSet)(qd_context *ctx, void *set);

    /* Arrays.  Indices are positions in the index sets, one per dimension. */
    int (*arrayDimensions)(void *array);
    qd_type (*arrayElementType)(void *array);
    /* Writes arrayDimensions handles to sets[]. */
    void (*arrayIndexSets)(void *array, void **sets);
    int (*arrayEntryCount)(void *array);
    /* The cell's value, the element type's default when nothing is stored.
     * A record element gives the record in out->p, creating nothing. */
    int (*arrayGet)(void *array, const int *indices, qd_value *out);
    /* Every cell of the index sets in order (last index fastest); answer
     * non-zero when there is none or the walk is over. */
    int (*arrayFirstCell)(void *array, int *indices);
    int (*arrayNextCell)(void *array, int *indices);
    /* Stored entries only, in the same order. */
    int (*arrayFirstEntry)(void *array, int *indices);
    int (*arrayNextEntry)(void *array, int *indices);
    /* Stores a basic value.  For a record element the cell is created (when
     * missing) and the record is given back in value->p. */
    int (*arraySet)(qd_context *ctx, void *array, const int *indices, qd_value *value);
    /* Stores a copy of an external object. */
    int (*arraySetObject)(qd_context *ctx, void *array, const int *indices, void *object);
    int (*arrayBeginLoad)(qd_context *ctx, void *array);
    /* Ends a bulk load; answers the status it was given. */
    int (*arrayEndLoad)(qd_context *ctx, void *array, int status);
    /* <0, 0, >0 as tuple a sorts before, equal to, after tuple b. */
    int (*compareIndices)(int dims, const int *a, const int *b);

    /* Types. */
    int (*typeInfo)(qd_context *ctx, qd_type type, int what, void *out);

    /* Lists.  elementType is 0 for an untyped list.  listNext walks from
     * prev (NULL to start) and answers NULL at the end. */
    int (*listSize)(void *list);
    qd_type (*listElementType)(void *list);
    int (*listAppend)(qd_context *ctx, void *list, qd_type type, const qd_value *value);
    void *(*listNext)(void *list, void *prev, qd_type *type, qd_value *value);

    /* Records.  recordField gives in *out a reference to the field: for a
     * string field a `const char **`, for an external or record field the
     * object itself.  recordValue reads (QD_FIELD_GET) or stores
     * (QD_FIELD_SET) a basic field through *value. */
    int (*recordField)(qd_context *ctx, qd_type type, void *record, int field, void **out);
    int (*recordValue)(qd_context *ctx, qd_type type, void *record, int field, qd_value *value,
                       int mode);

    /* Objects of external and record types. */
    void *(*newObject)(qd_context *ctx, qd_type type);
    void (*deleteObject)(qd_context *ctx, qd_type type, void *object);
    /* QD_COPY_TEXT: source is a text parsed into dest (for a string type,
     * dest is a `const char **` that receives a text handle). */
    int (*copyObject)(qd_context *ctx, qd_type type, void *dest, const void *source, int flags);
    /* Writes the object as text; answers the full length, negative on failure. */
    int (*toText)(qd_context *ctx, qd_type type, const void *object, char *buffer, int size);
    /* A host string handle equal to text; lives as long as the context. */
    const char *(*textHandle)(qd_context *ctx, const char *text);

    /* Streams: one current stream per context. */
    int (*openStream)(qd_context *ctx, int flags, const char *path);
    int (*closeStream)(qd_context *ctx, int mode);
    int (*print)(qd_context *ctx, const char *format, ...);
    /* Bytes read, 0 at the end, negative on error. */
    long (*read)(qd_context *ctx, void *buffer, long count);
    /* Turns a model's file name into a path in out (size bytes). */
    int (*findFile)(qd_context *ctx, const char *name, char *out, int size, int flags);

    /* Messages. */
    const char *(*messageDir)(void);
    void (*dispatchError)(qd_context *ctx, const char *format, ...);
    void (*reportError)(qd_context *ctx, const char *text, int code);
} qd_host;

/* ---- What the module gives back ---------------------------------------- */

/* Driver operation tags. */
#define QD_DRV_OPEN 1
#define QD_DRV_CLOSE 2
#define QD_DRV_UNSUPPORTED1 3
#define QD_DRV_UNSUPPORTED2 4
#define QD_DRV_TRANSFER_IN 5
#define QD_DRV_TRANSFER_OUT 6
#define QD_DRV_INFO 7

typedef void *(*qd_open_fn)(qd_context *ctx, int *mode, const char *name);
typedef int (*qd_close_fn)(qd_context *ctx, void *file);
typedef int (*qd_transfer_in_fn)(qd_context *ctx, void *file, int count, const char **labels,
                                 const qd_type *types, void **values, int *counters);
typedef int (*qd_transfer_out_fn)(qd_context *ctx, void *file, int count, const char **labels,
                                  const qd_type *types, void **values);
typedef int (*qd_unsupported_fn)(qd_context *ctx, void *file, ...);

/* Open mode word bits. */
#define QD_MODE_OPENED 0x1    /* set by the driver on open */
#define QD_MODE_WRITE 0x2     /* open for writing */
#define QD_MODE_PENDING 0x20  /* cleared when the driver took charge of the file */
#define QD_MODE_NOSTREAM 0x40 /* set when a stream could not be opened */
#define QD_MODE_XML 0x10000   /* set by the "xlsx" driver */

typedef struct qd_driver_op {
    int tag;        /* QD_DRV_..., 0 ends the list */
    const void *op; /* a function pointer cast, or the info text */
} qd_driver_op;

typedef struct qd_driver {
    const char *name; /* NULL ends the list */
    const qd_driver_op *ops;
} qd_driver;

/* Service tags. */
#define QD_SRV_CHECK_VERSION 2   /* int (*)(int version): non-zero = refuse */
#define QD_SRV_FINISH 3          /* void (*)(void) */
#define QD_SRV_DRIVERS 8         /* const qd_driver * */
#define QD_SRV_SET_FLAGS 10      /* int (*)(int flags) */
#define QD_SRV_ADJUST_VERSION 12 /* void (*)(int flag, int *version) */

typedef struct qd_service {
    int tag;
    const void *op;
} qd_service;

typedef struct qd_module_desc {
    int nconsts;
    const void *consts;
    int nfuncs;
    const void *funcs;
    int ntypes;
    const void *types;
    int nservices;
    const qd_service *services;
} qd_module_desc;

/* The module's one exported entry.  Answers 0 on success. */
typedef int (*qdsheet_init_fn)(const qd_host *host, int *version, int *interfaceVersion,
                               const qd_module_desc **desc);
int qdsheet_init(const qd_host *host, int *version, int *interfaceVersion,
                 const qd_module_desc **desc);

#ifdef __cplusplus
}
#endif
#endif
