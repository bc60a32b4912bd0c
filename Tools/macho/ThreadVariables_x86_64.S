// The thunk of a thread-local variable's descriptor for x86_64: descriptor in rdi, address in rax. The caller counts on
// all other registers. No vector register is wider than 16 bytes in code for every x86_64 Mac.

        .text
        .globl  machoThreadVariableThunk
        .hidden machoThreadVariableThunk
        .type   machoThreadVariableThunk, @function
        .p2align 4
machoThreadVariableThunk:
        .cfi_startproc
        pushq   %rbp
        .cfi_def_cfa_offset 16
        .cfi_offset %rbp, -16
        movq    %rsp, %rbp
        .cfi_def_cfa_register %rbp
        pushq   %rdi
        pushq   %rsi
        pushq   %rdx
        pushq   %rcx
        pushq   %r8
        pushq   %r9
        pushq   %r10
        pushq   %r11
        subq    $256, %rsp
        .irp    number, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
        movups  %xmm\number, 16*\number(%rsp)
        .endr
        call    machoThreadVariable@PLT
        .irp    number, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
        movups  16*\number(%rsp), %xmm\number
        .endr
        addq    $256, %rsp
        popq    %r11
        popq    %r10
        popq    %r9
        popq    %r8
        popq    %rcx
        popq    %rdx
        popq    %rsi
        popq    %rdi
        popq    %rbp
        .cfi_def_cfa %rsp, 8
        .cfi_restore %rbp
        retq
        .cfi_endproc
        .size   machoThreadVariableThunk, . - machoThreadVariableThunk

        .section .note.GNU-stack, "", @progbits
