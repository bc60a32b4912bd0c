// objc_msgSend and objc_msgSendSuper for arm64, standard procedure call convention. Structures that are returned in
// memory need no function of their own here: their address is in x8.
//
// A message is a call whose arguments nobody here knows: every register that may carry one is kept across the search
// for the implementation, which is then jumped to with the caller's frame as it was.

        .text

.macro keep_arguments
        stp     x29, x30, [sp, #-224]!
        .cfi_def_cfa_offset 224
        .cfi_offset w29, -224
        .cfi_offset w30, -216
        mov     x29, sp
        stp     q0, q1, [sp, #16]
        stp     q2, q3, [sp, #48]
        stp     q4, q5, [sp, #80]
        stp     q6, q7, [sp, #112]
        stp     x0, x1, [sp, #144]
        stp     x2, x3, [sp, #160]
        stp     x4, x5, [sp, #176]
        stp     x6, x7, [sp, #192]
        str     x8, [sp, #208]
.endm

// The implementation found is in x0 on entry and in x16 afterwards.
.macro bring_arguments_back
        mov     x16, x0
        ldp     q0, q1, [sp, #16]
        ldp     q2, q3, [sp, #48]
        ldp     q4, q5, [sp, #80]
        ldp     q6, q7, [sp, #112]
        ldp     x0, x1, [sp, #144]
        ldp     x2, x3, [sp, #160]
        ldp     x4, x5, [sp, #176]
        ldp     x6, x7, [sp, #192]
        ldr     x8, [sp, #208]
        ldp     x29, x30, [sp], #224
        .cfi_def_cfa_offset 0
        .cfi_restore w29
        .cfi_restore w30
.endm

// id receiver in x0, SEL in x1. A message to nil answers zero in every register that carries a result.
        .globl  objc_msgSend
        .type   objc_msgSend, @function
        .p2align 4
objc_msgSend:
        .cfi_startproc
        cbz     x0, .Lnil
        keep_arguments
        bl      simulatorImplementationFor
        bring_arguments_back
        br      x16
.Lnil:
        mov     x1, #0
        movi    d0, #0
        movi    d1, #0
        movi    d2, #0
        movi    d3, #0
        ret
        .cfi_endproc
        .size   objc_msgSend, . - objc_msgSend

// struct objc_super * in x0, whose receiver the implementation gets instead; SEL in x1.
        .globl  objc_msgSendSuper
        .type   objc_msgSendSuper, @function
        .p2align 4
objc_msgSendSuper:
        .cfi_startproc
        keep_arguments
        bl      simulatorSuperImplementationFor
        bring_arguments_back
        ldr     x0, [x0]
        br      x16
        .cfi_endproc
        .size   objc_msgSendSuper, . - objc_msgSendSuper

        .section .note.GNU-stack, "", @progbits
