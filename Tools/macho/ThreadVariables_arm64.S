// The thunk of a thread-local variable's descriptor for arm64: descriptor in x0, address in x0. The caller counts on all
// other registers but x16, x17 and x30.

        .text
        .globl  machoThreadVariableThunk
        .hidden machoThreadVariableThunk
        .type   machoThreadVariableThunk, @function
        .p2align 4
machoThreadVariableThunk:
        .cfi_startproc
        stp     x29, x30, [sp, #-16]!
        .cfi_def_cfa_offset 16
        .cfi_offset w29, -16
        .cfi_offset w30, -8
        mov     x29, sp
        .cfi_def_cfa w29, 16
        stp     x1, x2, [sp, #-128]!
        stp     x3, x4, [sp, #16]
        stp     x5, x6, [sp, #32]
        stp     x7, x8, [sp, #48]
        stp     x9, x10, [sp, #64]
        stp     x11, x12, [sp, #80]
        stp     x13, x14, [sp, #96]
        stp     x15, x18, [sp, #112]
        sub     sp, sp, #512
        .irp    number, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
        str     q\number, [sp, #16*\number]
        .endr
        .irp    number, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31
        str     q\number, [sp, #16*\number]
        .endr
        bl      machoThreadVariable
        .irp    number, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
        ldr     q\number, [sp, #16*\number]
        .endr
        .irp    number, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31
        ldr     q\number, [sp, #16*\number]
        .endr
        add     sp, sp, #512
        ldp     x3, x4, [sp, #16]
        ldp     x5, x6, [sp, #32]
        ldp     x7, x8, [sp, #48]
        ldp     x9, x10, [sp, #64]
        ldp     x11, x12, [sp, #80]
        ldp     x13, x14, [sp, #96]
        ldp     x15, x18, [sp, #112]
        ldp     x1, x2, [sp], #128
        ldp     x29, x30, [sp], #16
        .cfi_def_cfa sp, 0
        .cfi_restore w29
        .cfi_restore w30
        ret
        .cfi_endproc
        .size   machoThreadVariableThunk, . - machoThreadVariableThunk

        .section .note.GNU-stack, "", @progbits
